// gui_screenshot_check SHOT.png REPORT.txt: where each tab stop puts a
// column's start (stop x average character / 4 from the text's left edge)
// the separator line runs down the rows unbroken, so no text crosses it.
#include <QFile>
#include <QImage>
#include <QStringList>
#include <QTextStream>

#include <cmath>
#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const QImage img(QString::fromLocal8Bit(argv[1]));
  QFile file(QString::fromLocal8Bit(argv[2]));
  int text_left = -1, top = -1, bottom = -1;
  double average = 0;
  QStringList stops;
  if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
    QTextStream in(&file);
    while (!in.atEnd()) {
      QStringList f = in.readLine().split(' ', Qt::SkipEmptyParts);
      const QString key = f.isEmpty() ? QString() : f.takeFirst();
      if (key == QLatin1String("text_left") && f.size() == 1) text_left = f[0].toInt();
      if (key == QLatin1String("rows") && f.size() == 2) top = f[0].toInt(), bottom = f[1].toInt();
      if (key == QLatin1String("average") && f.size() == 1) average = f[0].toDouble();
      if (key == QLatin1String("stops")) stops = f;
    }
  }
  if (img.isNull() || text_left < 1 || bottom <= top || average <= 0 || stops.size() < 2) {
    std::fprintf(stderr, "cannot read the screenshot or the report\n");
    return 1;
  }
  const QRgb background = img.pixel(text_left - 1, bottom);
  int failures = 0;
  for (qsizetype i = 1; i < stops.size(); ++i) {
    // Where the column starts, worked out here from the stop itself; the
    // separator is drawn two pixels before the text.
    const int x = text_left + static_cast<int>(std::lround(stops[i].toInt() * average / 4.0)) - 2;
    const QRgb line = x >= 0 && x < img.width() ? img.pixel(x, (top + bottom) / 2) : background;
    int same = 0;
    for (int y = top; line != background && y <= bottom; ++y) same += img.pixel(x, y) == line;
    const double here = static_cast<double>(same) / (bottom - top + 1);
    std::printf("column %lld: stop %s -> x %d, separator %.0f%%\n", static_cast<long long>(i) + 1, qPrintable(stops[i]),
                x, here * 100);
    failures += here < 0.98;
  }
  if (failures) std::printf("%d column(s) do not line up\n", failures);
  return failures ? 1 : 0;
}
