#include "tolva/qt/list_box_adapter.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>

namespace tolva::qt {

namespace {
// Pixels between the cell's edge and its text, as the style draws plain items.
int TextMargin(const QStyleOptionViewItem& option) {
  const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
  return style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
}
}  // namespace

double TabStopDelegate::AverageCharWidth(const QFont& font) {
  QFont unkerned = font;
  unkerned.setKerning(false);
  return QFontMetricsF(unkerned).horizontalAdvance(
             QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ")) /
         52.0;
}

int TabStopDelegate::ColumnStart(std::size_t column, const QFont& font) const {
  const double average = AverageCharWidth(font);
  double units;
  if (column < stops_.size()) {
    units = stops_[column];
  } else {
    const double last = stops_.empty() ? 0 : stops_.back();
    units = last + 32.0 * static_cast<double>(column + 1 - stops_.size());
  }
  return qRound(units * average / 4.0);
}

void TabStopDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem opt = option;
  initStyleOption(&opt, index);
  const QStringList parts = opt.text.split(QLatin1Char('\t'));
  opt.text.clear();
  const QStyle* style = opt.widget ? opt.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, opt.widget);

  painter->save();
  const QRect cell = opt.rect;
  const int left = cell.left() + TextMargin(opt);
  const bool selected = opt.state & QStyle::State_Selected;
  for (qsizetype i = 0; i < parts.size(); ++i) {
    const int start = left + ColumnStart(static_cast<std::size_t>(i), opt.font);
    const int end = i + 1 < parts.size() ? left + ColumnStart(static_cast<std::size_t>(i + 1), opt.font) : cell.right();
    if (i > 0) {
      painter->setPen(opt.palette.color(QPalette::Mid));
      painter->drawLine(start - 2, cell.top(), start - 2, cell.bottom());
    }
    painter->setPen(opt.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    QFont font = opt.font;
    font.setKerning(false);  // drawn as it was measured
    painter->setFont(font);
    const QRect column(start, cell.top(), qMax(0, end - start - 3), cell.height());
    painter->drawText(column, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, parts[i]);
  }
  painter->restore();
}

QSize TabStopDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  // The scrollable width is the extent the component set, not the raw text.
  if (extent_ > 0) size.setWidth(static_cast<int>(extent_) + 2 * TextMargin(option));
  return size;
}

QtListBox::QtListBox(QListWidget* list) : list_(list) {
  if (!list) return;
  delegate_ = qobject_cast<TabStopDelegate*>(list->itemDelegate());
  if (!delegate_) {
    delegate_ = new TabStopDelegate(list);  // owned by the list
    list->setItemDelegate(delegate_);
  }
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  // Rows of a list box are one line each: laying out a long list must not
  // shape every row's text to find its height.
  list->setUniformItemSizes(true);
}

FontSpec QtListBox::Font() const {
  if (!list_) return {};
  const QFont f = list_->font();
  return {f.family().toStdString(), f.pointSizeF(), f.bold(), f.italic()};
}

Long QtListBox::ListCount() const {
  return list_ ? static_cast<Long>(list_->count()) : 0;
}

std::string QtListBox::List(Long row) const {
  if (!list_) return {};
  const QListWidgetItem* item = list_->item(row);
  return item ? item->text().toStdString() : std::string();
}

void QtListBox::SetTabStops(const std::vector<Long>& stops) {
  if (!list_ || !delegate_) return;
  delegate_->SetTabStops(stops);
  list_->viewport()->update();
}

void QtListBox::SetHorizontalExtent(Long pixels) {
  if (!list_ || !delegate_) return;
  delegate_->SetHorizontalExtent(pixels);
  list_->doItemsLayout();  // item sizes changed: the scroll range follows
}

}  // namespace tolva::qt
