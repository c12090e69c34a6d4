// The component's properties and lifecycle handlers through a property bag.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

class RecordingContainer : public HostContainer {
 public:
  void PropertyChanged(const std::string& name) override { changed.push_back(name); }
  std::vector<std::string> changed;
};

TEST(Lifecycle, OnlyValuesThatDifferFromTheDefaultAreSavedAndLoadBackWithoutNotices) {
  Tolva2011Register c{platform::Services{}};
  c.InitProperties();
  c.Icon(nullptr);  // the icon default in the bag is "no picture"
  MemoryPropertyBag defaults;
  c.WriteProperties(defaults);
  EXPECT_TRUE(defaults.Empty());

  c.ProgramName("");  // differs from "Tolva", so it is saved
  c.FormSizeRatio(-2.5f);
  c.RegistryBackupLoad(kTrue);
  c.ReadWriteIncrement(500);  // never saved: zero after every load
  c.FTPSecurity(2);
  c.FTPCertificateFile("/etc/ca.pem");
  MemoryPropertyBag bag;
  c.WriteProperties(bag);
  EXPECT_EQ(bag.Size(), 5u);

  RecordingContainer host;
  Tolva2011Register d{platform::Services{}, &host};
  d.ReadWriteIncrement(7);
  host.changed.clear();
  d.ReadProperties(bag);
  EXPECT_EQ(d.ProgramName(), "");
  EXPECT_FLOAT_EQ(d.FormSizeRatio(), -2.5f);
  EXPECT_EQ(d.RegistryBackupLoad(), kTrue);
  EXPECT_EQ(d.ReadWriteIncrement(), 0);
  EXPECT_EQ(d.FTPSecurity(), 2);
  EXPECT_EQ(d.FTPCertificateFile(), "/etc/ca.pem");
  EXPECT_TRUE(host.changed.empty()) << "loading does not notify";

  d.ReadProperties(defaults);
  EXPECT_EQ(d.ProgramName(), "Tolva");
  EXPECT_FLOAT_EQ(d.FormSizeRatio(), 0.75f);
  EXPECT_EQ(d.Icon(), nullptr);
  EXPECT_EQ(d.FTPSecurity(), 0) << "plain FTP unless the host asks";
  EXPECT_EQ(d.FTPCertificateFile(), "");
}

}  // namespace
}  // namespace tolva
