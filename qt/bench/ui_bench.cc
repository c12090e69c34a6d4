// ListBoxTabPositionsSet on a Qt list widget of 10,000 rows of 10 columns,
// beside the reference: measuring every cell with a fresh QFontMetricsF.
// Run with QT_QPA_PLATFORM=offscreen (no display needed).
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFontMetricsF>
#include <QListWidget>

#include <cstdio>
#include <memory>
#include <string>

#include "tolva/qt/display_check.h"
#include "tolva/qt/list_box_adapter.h"
#include "tolva/qt/qt_window_services.h"
#include "tolva/tolva2011register.h"

namespace {

constexpr int kRows = 10000;
constexpr int kColumns = 10;

// Rows like a CSV export: ids, names, codes, amounts and dates, with the
// repetition real data has (codes and dates recur, ids and amounts do not).
QListWidget* Rows() {
  static QListWidget* list = [] {
    auto* l = new QListWidget;
    static const char* names[] = {"Anna Lindqvist", "Bo", "Wolfgang Oberhuber", "Mei Chen", "Olu Adeyemi"};
    static const char* cities[] = {"Gothenburg", "Wien", "Lagos", "Chengdu", "Trondheim", "Porto"};
    for (int r = 0; r < kRows; ++r) {
      QString row = QString::number(100000 + r);
      row += '\t' + QString::fromLatin1(names[r % 5]);
      row += '\t' + QString::fromLatin1(cities[r % 6]);
      row += '\t' + QStringLiteral("C%1").arg(r % 40);
      row += '\t' + QString::number(r * 37.25, 'f', 2);
      row += '\t' + QStringLiteral("2011-%1-%2").arg(1 + r % 12, 2, 10, QChar('0')).arg(1 + r % 28, 2, 10, QChar('0'));
      row += '\t' + QString::number(r % 3 == 0 ? 1 : 0);
      row += '\t' + QStringLiteral("note %1").arg(r % 250);
      row += '\t' + QString::number((r * 7919) % 100000);
      row += '\t' + QStringLiteral("end");
      l->addItem(row);
    }
    return l;
  }();
  return list;
}

void BM_ListBoxTabPositionsSet(benchmark::State& state) {
  tolva::platform::Services services;
  services.windows = std::make_shared<tolva::qt::QtWindowServices>();
  tolva::Tolva2011Register c(services);
  tolva::qt::QtListBox box(Rows());
  tolva::HostArray<tolva::Long> widths = tolva::HostArray<tolva::Long>::OneDim(1, kColumns);
  for (auto _ : state) {
    c.ListBoxTabPositionsSet(box, kColumns, widths);
    benchmark::DoNotOptimize(widths);
  }
  state.counters["rows"] = kRows;
}

// The reference: every cell split out and measured with a metrics object
// made for it, as a naive layout would.
void BM_FreshFontMetricsPerCell(benchmark::State& state) {
  QListWidget* list = Rows();
  const QFont font = list->font();
  for (auto _ : state) {
    double widest[kColumns] = {};
    for (int r = 0; r < list->count(); ++r) {
      const QStringList parts = list->item(r)->text().split('\t');
      for (int col = 0; col < kColumns && col < parts.size(); ++col) {
        const QFontMetricsF metrics(font);
        widest[col] = std::max(widest[col], metrics.horizontalAdvance(parts[col]));
      }
    }
    benchmark::DoNotOptimize(widest);
  }
  state.counters["rows"] = kRows;
}

BENCHMARK(BM_ListBoxTabPositionsSet)->Unit(benchmark::kMillisecond)->Repetitions(3)->ReportAggregatesOnly(true);
BENCHMARK(BM_FreshFontMetricsPerCell)->Unit(benchmark::kMillisecond)->Repetitions(3)->ReportAggregatesOnly(true);

}  // namespace

int main(int argc, char** argv) {
  if (!tolva::qt::CanStartGui()) {
    std::fprintf(stderr, "ui_bench: no display; run with QT_QPA_PLATFORM=offscreen\n");
    return 1;
  }
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
