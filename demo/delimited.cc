// The delimited-text part of the tour: measure a CSV file, then print a
// slice of it (a record range and a field range) as a table.
#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <string>
#include <vector>

#include "demo.h"

namespace {

// Shows line breaks inside a value as a visible mark, so the table stays one line per record.
std::string OneLine(std::string value) {
  std::string out;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\r' && i + 1 < value.size() && value[i + 1] == '\n') {
      out += " / ";
      ++i;
    } else {
      out += value[i];
    }
  }
  return out;
}

long Arg(const demo::Args& args, std::size_t i, long fallback) {
  return i < args.size() ? std::strtol(args[i].c_str(), nullptr, 10) : fallback;
}

int Delimited(const demo::Args& args) {
  if (args.empty()) {
    std::cerr << "usage: delimited FILE [FIRST_RECORD LAST_RECORD FIRST_FIELD LAST_FIELD]\n";
    return 2;
  }
  demo::ConsoleHost host;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), &host, &host);
  const std::string& file = args[0];

  demo::Heading("Measuring " + c.FileName(file));
  tolva::Long rows = 0, columns = 0;
  std::string error;
  if (!tolva::IsTrue(c.ReadFileToArrayGetSize(file, rows, columns, error))) {
    demo::Show("error", error);
    return 1;
  }
  demo::Show("rows (header included)", std::to_string(rows));
  demo::Show("widest row (fields)", std::to_string(columns));

  const auto first_record = static_cast<tolva::Long>(Arg(args, 1, 1));
  const auto last_record = static_cast<tolva::Long>(Arg(args, 2, rows - 1));
  const auto first_field = static_cast<tolva::Long>(Arg(args, 3, 1));
  const auto last_field = static_cast<tolva::Long>(Arg(args, 4, columns));
  const tolva::Long width = std::max<tolva::Long>(0, last_field - first_field + 1);
  const tolva::Long height = std::max<tolva::Long>(0, last_record - std::max<tolva::Long>(first_record, 1) + 1);
  auto names = tolva::HostArray<std::string>::OneDim(1, std::max<tolva::Long>(width, 1));
  auto values =
      tolva::HostArray<std::string>::TwoDim(1, std::max<tolva::Long>(height, 1), 1, std::max<tolva::Long>(width, 1));
  tolva::Long records = 0, fields = 0;
  demo::Heading("Records " + std::to_string(first_record) + " to " + std::to_string(last_record) + ", fields " +
                std::to_string(first_field) + " to " + std::to_string(last_field));
  if (!tolva::IsTrue(c.ReadFileToCSVDatabase(file, names, values, first_record, last_record, first_field, last_field,
                                             records, fields, error))) {
    demo::Show("error", error);
    return 1;
  }
  // Column widths from the names and values shown.
  std::vector<std::size_t> widths(static_cast<std::size_t>(std::max<tolva::Long>(fields, 0)), 0);
  for (tolva::Long f = 1; f <= fields; ++f) {
    std::size_t w = names.At(f) ? names.At(f)->size() : 0;
    for (tolva::Long r = 1; r <= records; ++r)
      if (const std::string* v = values.At(r, f)) w = std::max(w, OneLine(*v).size());
    widths[static_cast<std::size_t>(f - 1)] = std::min<std::size_t>(w, 40);
  }
  auto print_row = [&](auto cell) {
    std::cout << "  |";
    for (tolva::Long f = 1; f <= fields; ++f)
      std::cout << " " << std::left << std::setw(static_cast<int>(widths[static_cast<std::size_t>(f - 1)]))
                << OneLine(cell(f)).substr(0, 40) << " |";
    std::cout << "\n";
  };
  print_row([&](tolva::Long f) { return names.At(f) ? *names.At(f) : std::string(); });
  for (tolva::Long r = 1; r <= records; ++r)
    print_row([&](tolva::Long f) { return values.At(r, f) ? *values.At(r, f) : std::string(); });
  demo::Show("NumberRecords", std::to_string(records));
  demo::Show("NumberFields", std::to_string(fields));
  return 0;
}

TOLVA_DEMO_COMMAND("delimited", "FILE [FIRST_RECORD LAST_RECORD FIRST_FIELD LAST_FIELD]", Delimited);

}  // namespace
