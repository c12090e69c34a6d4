// A QListWidget as the component's list box: QtListBox and its TabStopDelegate.
#ifndef TOLVA_QT_LIST_BOX_ADAPTER_H_
#define TOLVA_QT_LIST_BOX_ADAPTER_H_

#include <QListWidget>
#include <QPointer>
#include <QStyledItemDelegate>

#include <vector>

#include "tolva/export.h"
#include "tolva/platform/window_services.h"

namespace tolva::qt {

/// Draws a row's tab-separated parts at the stops, each clipped to its column, with a thin separator line at
/// the start of every column after the first.
class TOLVA_QT_EXPORT TabStopDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// A delegate with no stops, owned by `parent`.
  explicit TabStopDelegate(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}

  /// Sets the tab `stops`, in dialog units (four to the font's average character).
  void SetTabStops(std::vector<Long> stops) { stops_ = std::move(stops); }
  /// Sets the scrollable width, `pixels`.
  void SetHorizontalExtent(Long pixels) { extent_ = pixels; }
  /// The tab stops, in dialog units.
  const std::vector<Long>& tab_stops() const { return stops_; }
  /// The scrollable width in pixels.
  Long horizontal_extent() const { return extent_; }

  /// The average character of `font` in pixels: the width of the 52 letters divided by 52, the measure
  /// dialog units are made of.
  static double AverageCharWidth(const QFont& font);
  /// Where column `column` (0-based) starts in `font`, in pixels from the text's left edge. Columns past the
  /// last stop follow every 8 average characters.
  int ColumnStart(std::size_t column, const QFont& font) const;

  /// Draws the row at `index` in columns, within `option`'s rectangle, with `painter`.
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// The row's size: as wide as the scrollable width when that is set.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  std::vector<Long> stops_;
  Long extent_ = 0;
};

/// A QListWidget of tab-separated rows as the component's list box: the rows are drawn in columns at the tab
/// stops the component sets, and the list scrolls horizontally over the extent it sets. The adapter does not
/// own the list.
class TOLVA_QT_EXPORT QtListBox : public ListBox {
 public:
  /// A list box on `list`; installs a TabStopDelegate on it unless it has one already.
  explicit QtListBox(QListWidget* list);
  FontSpec Font() const override;
  Long ListCount() const override;
  std::string List(Long row) const override;
  void SetTabStops(const std::vector<Long>& stops) override;
  void SetHorizontalExtent(Long pixels) override;
  /// The list's delegate; null once the list is deleted.
  TabStopDelegate* delegate() const { return delegate_; }

 private:
  QPointer<QListWidget> list_;
  QPointer<TabStopDelegate> delegate_;
};

}  // namespace tolva::qt

#endif  // TOLVA_QT_LIST_BOX_ADAPTER_H_
