#include "util/trim.h"

namespace tolva::util {

namespace {

bool IsControlOrBlank(char c) {
  return static_cast<unsigned char>(c) <= 32;
}

}  // namespace

std::string TrimControlEnds(const std::string& input) {
  // Dropping one end character per pass until nothing changes leaves the
  // same text as finding both ends once; the text is copied only once.
  std::size_t begin = 0;
  std::size_t end = input.size();
  while (begin < end && IsControlOrBlank(input[begin])) ++begin;
  while (end > begin && IsControlOrBlank(input[end - 1])) --end;
  return input.substr(begin, end - begin);
}

}  // namespace tolva::util
