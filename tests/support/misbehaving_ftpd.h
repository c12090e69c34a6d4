// Starts tests/support/misbehaving_ftpd.py with a scenario (JSON text, keys
// described in the script) on 127.0.0.1 and stops it by pid on destruction.
#ifndef TOLVA_TESTS_SUPPORT_MISBEHAVING_FTPD_H_
#define TOLVA_TESTS_SUPPORT_MISBEHAVING_FTPD_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/ftp_servers.h"

namespace tolva::testing {

class MisbehavingFtpd {
 public:
  // nullptr (reason in `why`) when the server did not start.
  static std::unique_ptr<MisbehavingFtpd> Start(const std::string& scenario_json, std::string* why = nullptr);
  ~MisbehavingFtpd();
  MisbehavingFtpd(const MisbehavingFtpd&) = delete;
  MisbehavingFtpd& operator=(const MisbehavingFtpd&) = delete;

  std::uint16_t Port() const { return port_; }
  std::string HostPort() const { return "127.0.0.1:" + std::to_string(port_); }
  // Every command line received so far, in order, on all connections.
  std::vector<std::string> Commands() const;
  // How many of them start with `verb`.
  int Count(const std::string& verb) const;

 private:
  MisbehavingFtpd() = default;
  std::string work_;
  std::uint16_t port_ = 0;
  ChildProcess process_;
};

}  // namespace tolva::testing

#endif  // TOLVA_TESTS_SUPPORT_MISBEHAVING_FTPD_H_
