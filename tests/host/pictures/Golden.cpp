#include "tests/host/pictures/Golden.h"

#include <QDir>

#include <algorithm>
#include <cstdlib>

namespace {

// Of 255. Smoothing that is done otherwise shifts the pixels of an edge by a part of its contrast.
constexpr int leastOfAChange = 64;
constexpr int leastOfATint = 5;
constexpr int mostChanged = 4;
constexpr int mostTinted = 150;

int distance(QRgb one, QRgb other) {
  return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                   std::abs(qBlue(one) - qBlue(other))});
}

QRgb darkened(QRgb pixel) {
  return qRgb(qRed(pixel) / 3, qGreen(pixel) / 3, qBlue(pixel) / 3);
}

QString goldenPath(const QString& name) {
  return QStringLiteral(QUILLOP_GOLDEN_PICTURES "/%1.png").arg(name);
}

bool save(const QImage& image, const QString& folder, const QString& name) {
  constexpr int smallest = 0;  // for PNG the quality is how much it is not compressed
  return QDir().mkpath(folder) && image.save(folder + QLatin1Char('/') + name, "PNG", smallest);
}

testing::AssertionResult renewed(const QString& name, const QImage& now) {
  if (save(now, QStringLiteral(QUILLOP_GOLDEN_PICTURES), name + QStringLiteral(".png"))) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << "could not write " << qPrintable(goldenPath(name));
}

}  // namespace

std::optional<Difference> differenceOf(const QImage& golden, const QImage& now) {
  if (golden.size() != now.size()) return std::nullopt;
  const QImage before = golden.convertToFormat(QImage::Format_RGB32);
  const QImage after = now.convertToFormat(QImage::Format_RGB32);
  Difference difference{0, 0, before};
  for (int y = 0; y < before.height(); ++y) {
    const auto* const was = reinterpret_cast<const QRgb*>(before.constScanLine(y));
    const auto* const is = reinterpret_cast<const QRgb*>(after.constScanLine(y));
    auto* const shown = reinterpret_cast<QRgb*>(difference.shown.scanLine(y));
    for (int x = 0; x < before.width(); ++x) {
      const int far = was[x] == is[x] ? 0 : distance(was[x], is[x]);
      difference.changed += far >= leastOfAChange ? 1 : 0;
      difference.tinted += far >= leastOfATint ? 1 : 0;
      const QRgb mark = far >= leastOfAChange ? qRgb(255, 0, 0) : qRgb(255, 220, 0);
      shown[x] = far >= leastOfATint ? mark : darkened(was[x]);
    }
  }
  return difference;
}

bool looksTheSame(const Difference& difference) {
  return difference.changed <= mostChanged && difference.tinted <= mostTinted;
}

testing::AssertionResult looksAs(const QString& name, const QImage& now) {
  const QImage golden(goldenPath(name));
  const auto difference = differenceOf(golden, now);
  if (difference && looksTheSame(*difference)) return testing::AssertionSuccess();
  if (qEnvironmentVariableIsSet("QUILLOP_RENEW_PICTURES")) return renewed(name, now);
  const QString folder = QStringLiteral(QUILLOP_PICTURES_OUT);
  save(now, folder, name + QStringLiteral(".png"));
  auto failure = testing::AssertionFailure() << qPrintable(name) << " looks otherwise: see " << qPrintable(folder);
  if (!difference) return failure << "; it has another size, or there was no such picture";
  save(difference->shown, folder, name + QStringLiteral("-difference.png"));
  return failure << "; " << difference->changed << " pixels are changed, " << difference->tinted << " tinted";
}
