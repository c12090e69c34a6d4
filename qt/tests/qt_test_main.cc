// Runs the Qt binding tests with a QApplication when one can be made here,
// and without one (the NoDisplay tests) when it cannot.
#include <gtest/gtest.h>

#include <QApplication>

#include <memory>

#include "tolva/qt/display_check.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  std::unique_ptr<QApplication> app;
  if (tolva::qt::CanStartGui()) app = std::make_unique<QApplication>(argc, argv);
  return RUN_ALL_TESTS();
}
