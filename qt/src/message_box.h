// A modal Qt message box from the classic message-box flags, answering the
// classic button code.
#ifndef TOLVA_QT_SRC_MESSAGE_BOX_H_
#define TOLVA_QT_SRC_MESSAGE_BOX_H_

#include <cstdint>
#include <string>

namespace tolva::qt {

// 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No.
int ShowClassicMessageBox(const std::string& text, const std::string& caption, std::uint32_t flags);

}  // namespace tolva::qt

#endif  // TOLVA_QT_SRC_MESSAGE_BOX_H_
