// The default filter of the file dialogs. "CSV FIles" and "&.htm" are kept
// exactly as hosts have always seen them.
#ifndef TOLVA_SRC_COMPONENT_DIALOG_FILTER_H_
#define TOLVA_SRC_COMPONENT_DIALOG_FILTER_H_

namespace tolva::detail {

inline constexpr const char* kDefaultDialogFilter =
    "All Files|*.*|Access Files (*.mdb)|*.mdb|"
    "CSV FIles (*.csv)|*.csv|"
    "dBase Files (*.dbf)|*.dbf|"
    "Excel Files (*.xls)|*.xls|"
    "Graphic Files|*.gif; *.jpeg; *.jpg; *.bmp; *.ico|"
    "HTML Files|*.html; &.htm; *.shtml; *.chm|"
    "PDF Files (*.pdf)|*.pdf|"
    "Text Files (*.txt)|*.txt|"
    "Word Documents (*.doc)|*.doc";

}  // namespace tolva::detail

#endif  // TOLVA_SRC_COMPONENT_DIALOG_FILTER_H_
