// Checks a tolva-gui screenshot against its column report: at every pixel
// column where a tab stop puts a column's start (stop x average character
// / 4 from the text's left edge) the separator line runs down the rows
// unbroken, so no text crosses it, and text starts just right of it.
//   gui_screenshot_check SHOT.png REPORT.txt
#include <QFile>
#include <QImage>
#include <QStringList>
#include <QTextStream>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

struct Report {
  int text_left = -1, top = -1, bottom = -1;
  double average = 0;
  std::vector<int> stops;
};

bool ReadReport(const QString& path, Report& r) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
  QTextStream in(&file);
  while (!in.atEnd()) {
    const QStringList f = in.readLine().split(' ', Qt::SkipEmptyParts);
    if (f.isEmpty()) continue;
    if (f[0] == QLatin1String("text_left") && f.size() == 2) r.text_left = f[1].toInt();
    if (f[0] == QLatin1String("rows") && f.size() == 3) r.top = f[1].toInt(), r.bottom = f[2].toInt();
    if (f[0] == QLatin1String("average") && f.size() == 2) r.average = f[1].toDouble();
    if (f[0] == QLatin1String("stops"))
      for (qsizetype i = 1; i < f.size(); ++i) r.stops.push_back(f[i].toInt());
  }
  return r.text_left >= 0 && r.bottom > r.top && r.average > 0 && r.stops.size() >= 2;
}

// How much of the column x between the rows is one colour different from
// the background at the left edge of the list.
double LineCoverage(const QImage& img, int x, const Report& r, QRgb background) {
  if (x < 0 || x >= img.width()) return 0;
  const QRgb line = img.pixel(x, (r.top + r.bottom) / 2);
  if (line == background) return 0;
  int same = 0;
  for (int y = r.top; y <= r.bottom; ++y) same += img.pixel(x, y) == line;
  return static_cast<double>(same) / (r.bottom - r.top + 1);
}

bool TextRightOf(const QImage& img, int x, int width, const Report& r, QRgb background) {
  for (int y = r.top; y <= r.bottom; ++y)
    for (int dx = 1; dx <= width; ++dx)
      if (x + dx < img.width() && qGray(img.pixel(x + dx, y)) + 60 < qGray(background)) return true;
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: gui_screenshot_check SHOT.png REPORT.txt\n");
    return 2;
  }
  const QImage img(QString::fromLocal8Bit(argv[1]));
  Report r;
  if (img.isNull() || !ReadReport(QString::fromLocal8Bit(argv[2]), r)) {
    std::fprintf(stderr, "cannot read the screenshot or the report\n");
    return 1;
  }
  const QRgb background = img.pixel(r.text_left - 1, r.bottom);
  int failures = 0;
  for (std::size_t i = 1; i < r.stops.size(); ++i) {
    // Where the column starts, worked out here from the stop itself; the
    // separator is drawn two pixels before the text.
    const int x = r.text_left + static_cast<int>(std::lround(r.stops[i] * r.average / 4.0)) - 2;
    const double here = LineCoverage(img, x, r, background);
    const bool text = TextRightOf(img, x, static_cast<int>(2 * r.average) + 2, r, background);
    std::printf("column %zu: stop %d -> x %d, separator %.0f%%, text after it: %s\n", i + 1, r.stops[i], x, here * 100,
                text ? "yes" : "no");
    if (here < 0.98 || !text) ++failures;
  }
  if (failures) std::printf("%d column(s) do not line up\n", failures);
  return failures ? 1 : 0;
}
