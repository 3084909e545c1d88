#include "display/image_fold.h"

#include <cstdlib>
#include <vector>

namespace orm {

namespace {

int distance(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
}

// For each target index, the first source index it covers; the last entry is the source length.
std::vector<int> spans(int sourceLength, int targetLength)
{
    std::vector<int> starts(size_t(targetLength) + 1);
    for (int t = 0; t <= targetLength; ++t)
        starts[size_t(t)] = int(qint64(t) * sourceLength / targetLength);
    return starts;
}

}  // namespace

QImage foldScaled(const QImage& source, const QRect& area, const std::vector<QRgb>& background, int width,
                  int height)
{
    const QRect from = area & source.rect();
    if (width <= 0 || height <= 0 || from.isEmpty() || background.size() < size_t(from.height()))
        return QImage();
    const QImage src = source.convertToFormat(QImage::Format_RGB32);
    QImage out(width, height, QImage::Format_RGB32);
    const std::vector<int> xs = spans(from.width(), width), ys = spans(from.height(), height);
    for (int ty = 0; ty < height; ++ty) {
        auto* line = reinterpret_cast<QRgb*>(out.scanLine(ty));
        const int y0 = ys[size_t(ty)], y1 = std::max(ys[size_t(ty) + 1], y0 + 1);
        for (int tx = 0; tx < width; ++tx) {
            const int x0 = xs[size_t(tx)], x1 = std::max(xs[size_t(tx) + 1], x0 + 1);
            QRgb best = reinterpret_cast<const QRgb*>(src.constScanLine(from.top() + y0))[from.left() + x0];
            int strongest = -1;
            for (int y = y0; y < y1; ++y) {
                const auto* s = reinterpret_cast<const QRgb*>(src.constScanLine(from.top() + y)) + from.left();
                const QRgb b = background[size_t(y)];
                for (int x = x0; x < x1; ++x) {
                    const int d = distance(s[x], b);
                    if (d > strongest) {
                        strongest = d;
                        best = s[x];
                    }
                }
            }
            line[tx] = best;
        }
    }
    return out;
}

}  // namespace orm
