// A minimal console host: reads a CSV file into an array and prints its
// shape, then counts its own runs in a profile (INI) file.
//   tolva-console-example DATA.csv SETTINGS.ini
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tolva/tolva2011register.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s DATA.csv SETTINGS.ini\n", argv[0]);
    return 2;
  }
  const std::string csv = argv[1];
  const std::string profile = argv[2];
  tolva::Tolva2011Register component;  // the real Linux services, no host container
  component.InitProperties();

  // The size first, so the array can hold the whole file.
  std::string error;
  tolva::Long rows = 0, columns = 0;
  if (!tolva::IsTrue(component.ReadFileToArrayGetSize(csv, rows, columns, error))) {
    std::fprintf(stderr, "%s: %s\n", csv.c_str(), error.c_str());
    return 1;
  }
  auto cells = tolva::HostArray<std::string>::TwoDim(1, rows, 1, columns);
  tolva::Long got_rows = 0, got_columns = 0;
  if (!tolva::IsTrue(
          component.ReadFileToArray(csv, cells, rows, columns, got_rows, got_columns, rows, columns, error))) {
    std::fprintf(stderr, "%s: %s\n", csv.c_str(), error.c_str());
    return 1;
  }
  std::printf("csv: %d rows x %d columns\n", static_cast<int>(got_rows), static_cast<int>(got_columns));
  if (const std::string* first = cells.At(1, 1)) std::printf("csv: first cell \"%s\"\n", first->c_str());

  // One value read and written back: the number of runs so far.
  const std::string before = component.FileReadProfileString(profile, "Example", "Runs", "0");
  const std::string after = std::to_string(std::strtol(before.c_str(), nullptr, 10) + 1);
  component.FileWriteProfileString(profile, "Example", "Runs", after);
  std::printf("profile: Runs %s -> %s\n", before.c_str(),
              component.FileReadProfileString(profile, "Example", "Runs").c_str());
  return 0;
}
