// Reading a regular file of known size whole into a string.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FILES_WHOLE_FILE_READ_H_
#define TOLVA_SRC_PLATFORM_LINUX_FILES_WHOLE_FILE_READ_H_

#include <cstdint>
#include <string>

namespace tolva::platform::posix {

// Reads up to `size` bytes of the regular file open on `fd` into `out`,
// which ends up holding exactly what was read (less when the file shrank
// meanwhile). Returns 0, or the errno of the read that failed. Throws
// std::bad_alloc when the string cannot be had.
//
// The cost of reading a large file from the page cache is mostly the first
// touch of the fresh memory that receives it, not the copy. So the string is
// never zero-filled first (where the standard library allows it), and a large
// file is read in a few parts at once, one per processor: the page faults of
// each part are then taken side by side.
int ReadRegularFile(int fd, std::uint64_t size, std::string& out);

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_FILES_WHOLE_FILE_READ_H_
