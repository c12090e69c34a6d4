// Shared pieces of the layer's integration tests: a library, an Internet
// handle and a logged-in connection to a server, closed on every path.
#ifndef TOLVA_TESTS_INTEGRATION_FTP_LAYER_FTP_LAYER_TEST_SUPPORT_H_
#define TOLVA_TESTS_INTEGRATION_FTP_LAYER_FTP_LAYER_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/linux/ftp/poco_internet_library.h"
#include "support/ftp_servers.h"
#include "tolva/platform/internet.h"

namespace tolva::testing {

struct LayerSession {
  std::shared_ptr<platform::InternetLibrary> lib = platform::posix::NewInternetLibrary();
  platform::InternetHandle internet = 0;
  platform::InternetHandle connection = 0;

  LayerSession() { internet = lib->Open("tolva-test", platform::kInternetOpenTypeDirect, 0); }
  ~LayerSession() {
    if (connection) lib->CloseHandle(connection);
    if (internet) lib->CloseHandle(internet);
  }
  bool Connect(const std::string& host_port, const std::string& user, const std::string& password) {
    connection = lib->Connect(internet, host_port, 0, user, password, platform::kInternetServiceFtp,
                              platform::kInternetFlagPassive);
    return connection != 0;
  }
};

// Bytes 0..255 repeating with a position-dependent twist, so shifted or
// dropped blocks are noticed.
inline std::string PatternBytes(std::size_t size) {
  std::string s(size, '\0');
  for (std::size_t i = 0; i < size; ++i) s[i] = static_cast<char>((i * 131 + i / 997) & 0xFF);
  return s;
}

}  // namespace tolva::testing

#endif  // TOLVA_TESTS_INTEGRATION_FTP_LAYER_FTP_LAYER_TEST_SUPPORT_H_
