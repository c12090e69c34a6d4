// Opaque non-zero 32-bit handles for the objects of the Internet library,
// each remembering the handle it was opened beneath, so closing a parent
// closes its children too.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_HANDLE_TABLE_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_HANDLE_TABLE_H_

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {

class HandleObject {
 public:
  virtual ~HandleObject() = default;
  // Releases what the object holds (sockets, transfers) in an orderly way;
  // called once, after the handle left the table. May throw the layer's
  // FtpFailure when the server refused the end of a transfer.
  virtual void Close() {}
  InternetHandle parent = 0;
};

class HandleTable {
 public:
  HandleTable() = default;
  HandleTable(const HandleTable&) = delete;
  HandleTable& operator=(const HandleTable&) = delete;

  // A fresh handle for `object`; 0 only if all 2^32-1 values are in use.
  InternetHandle Add(std::shared_ptr<HandleObject> object);
  template <class T>
  std::shared_ptr<T> Find(InternetHandle handle) const {
    return std::dynamic_pointer_cast<T>(FindAny(handle));
  }
  std::shared_ptr<HandleObject> FindAny(InternetHandle handle) const;
  // Takes `handle` and every handle beneath it out of the table; children
  // come first in the result. Empty when `handle` is unknown.
  std::vector<std::shared_ptr<HandleObject>> Remove(InternetHandle handle);
  std::size_t Size() const;
  // Drops every object (their destructors release what Close() did not).
  void Clear();

 private:
  void CollectChildren(InternetHandle handle, std::vector<InternetHandle>& out) const;

  mutable std::mutex mutex_;
  std::map<InternetHandle, std::shared_ptr<HandleObject>> objects_;
  InternetHandle next_ = 1;
};

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_HANDLE_TABLE_H_
