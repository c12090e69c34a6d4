#include "platform/linux/ftp/handle_table.h"

namespace tolva::platform::posix::ftp {

InternetHandle HandleTable::Add(std::shared_ptr<HandleObject> object) {
  std::lock_guard<std::mutex> lock(mutex_);
  // Values are not reused until the counter wraps, so a stale handle a host
  // kept does not silently reach a newer object.
  for (std::uint64_t tries = 0; tries < 0xFFFFFFFFull; ++tries) {
    const InternetHandle h = next_++;
    if (next_ == 0) next_ = 1;
    if (h != 0 && objects_.find(h) == objects_.end()) {
      objects_.emplace(h, std::move(object));
      return h;
    }
  }
  return 0;
}

std::shared_ptr<HandleObject> HandleTable::FindAny(InternetHandle handle) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto it = objects_.find(handle);
  return it == objects_.end() ? nullptr : it->second;
}

void HandleTable::CollectChildren(InternetHandle handle, std::vector<InternetHandle>& out) const {
  for (const auto& [h, object] : objects_) {
    if (object->parent == handle) {
      CollectChildren(h, out);
      out.push_back(h);
    }
  }
}

std::vector<std::shared_ptr<HandleObject>> HandleTable::Remove(InternetHandle handle) {
  std::vector<std::shared_ptr<HandleObject>> removed;
  std::lock_guard<std::mutex> lock(mutex_);
  if (handle == 0 || objects_.find(handle) == objects_.end()) return removed;
  std::vector<InternetHandle> order;
  CollectChildren(handle, order);
  order.push_back(handle);
  for (InternetHandle h : order) {
    auto it = objects_.find(h);
    removed.push_back(std::move(it->second));
    objects_.erase(it);
  }
  return removed;
}

std::size_t HandleTable::Size() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return objects_.size();
}

void HandleTable::Clear() {
  std::map<InternetHandle, std::shared_ptr<HandleObject>> objects;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    objects.swap(objects_);
  }
}

}  // namespace tolva::platform::posix::ftp
