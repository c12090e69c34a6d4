// The component's dialog filter text ("Description|pattern; pattern|...")
// as Qt name filters ("Description (pattern pattern)").
#ifndef TOLVA_QT_NAME_FILTERS_H_
#define TOLVA_QT_NAME_FILTERS_H_

#include <QStringList>

#include <string>

#include "tolva/export.h"

namespace tolva::qt {

/// The component's dialog `filter` ("Description|pattern; pattern|...") as Qt name filters
/// ("Description (pattern pattern)"). "*.*" becomes "*" (on this platform a name need not contain a dot); a
/// description that already ends in "(...)" loses it, so the patterns appear once; a description without
/// patterns matches everything.
TOLVA_QT_EXPORT QStringList NameFilters(const std::string& filter);

}  // namespace tolva::qt

#endif  // TOLVA_QT_NAME_FILTERS_H_
