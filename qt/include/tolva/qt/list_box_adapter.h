// A QListWidget of tab-separated rows as the component's list box: the rows
// are drawn in columns at the tab stops the component sets (dialog units,
// four to the font's average character), and the list scrolls
// horizontally over the extent it sets.
#ifndef TOLVA_QT_LIST_BOX_ADAPTER_H_
#define TOLVA_QT_LIST_BOX_ADAPTER_H_

#include <QListWidget>
#include <QPointer>
#include <QStyledItemDelegate>

#include <vector>

#include "tolva/export.h"
#include "tolva/platform/window_services.h"

namespace tolva::qt {

// Draws a row's tab-separated parts at the stops, each clipped to its
// column, with a thin separator line at the start of every column after the
// first.
class TOLVA_QT_EXPORT TabStopDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit TabStopDelegate(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}

  void SetTabStops(std::vector<Long> stops) { stops_ = std::move(stops); }
  void SetHorizontalExtent(Long pixels) { extent_ = pixels; }
  const std::vector<Long>& tab_stops() const { return stops_; }
  Long horizontal_extent() const { return extent_; }

  // The font's average character in pixels: the width of the 52 letters
  // divided by 52, the measure dialog units are made of.
  static double AverageCharWidth(const QFont& font);
  // Where column `column` (0-based) starts, in pixels from the text's left
  // edge. Columns past the last stop follow every 8 average characters.
  int ColumnStart(std::size_t column, const QFont& font) const;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  std::vector<Long> stops_;
  Long extent_ = 0;
};

class TOLVA_QT_EXPORT QtListBox : public ListBox {
 public:
  // Installs a TabStopDelegate on `list` unless it has one already.
  explicit QtListBox(QListWidget* list);
  FontSpec Font() const override;
  Long ListCount() const override;
  std::string List(Long row) const override;
  void SetTabStops(const std::vector<Long>& stops) override;
  void SetHorizontalExtent(Long pixels) override;
  TabStopDelegate* delegate() const { return delegate_; }

 private:
  QPointer<QListWidget> list_;
  QPointer<TabStopDelegate> delegate_;
};

}  // namespace tolva::qt

#endif  // TOLVA_QT_LIST_BOX_ADAPTER_H_
