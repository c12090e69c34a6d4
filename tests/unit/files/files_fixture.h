// A component working on the in-memory file system and profile store.
#ifndef TOLVA_TESTS_UNIT_FILES_FILES_FIXTURE_H_
#define TOLVA_TESTS_UNIT_FILES_FILES_FIXTURE_H_

#include <gtest/gtest.h>

#include <memory>

#include "fakes/fake_file_system.h"
#include "fakes/fake_profile_store.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing_files {

class FilesTest : public ::testing::Test {
 protected:
  FilesTest()
      : fs(std::make_shared<fakes::FakeFileSystem>()),
        profiles(std::make_shared<fakes::FakeProfileStore>()),
        c(Services()) {}

  platform::Services Services() {
    platform::Services s;
    s.files = fs;
    s.profiles = profiles;
    return s;
  }

  std::shared_ptr<fakes::FakeFileSystem> fs;
  std::shared_ptr<fakes::FakeProfileStore> profiles;
  Tolva2011Register c;
};

}  // namespace tolva::testing_files

#endif  // TOLVA_TESTS_UNIT_FILES_FILES_FIXTURE_H_
