// Reading a printed PDF back with poppler-utils: a page as a picture
// (pdftoppm), the text (pdftotext), the page count (pdfinfo), the images
// placed on the page (pdfimages) and where each word stands.
#pragma once

#include <QColor>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <vector>

namespace orm::test {

// Standard output of a poppler tool; empty when it failed or is missing.
inline QString poppler(const QString& tool, const QStringList& args)
{
    QProcess p;
    p.start(tool, args);
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

// Page `page` at 96 pixels an inch, the screen's size of a picture. pdftoppm
// smooths a picture it enlarges less than four times, so the page is drawn at
// four times that and each pixel read from the middle of its 4 x 4 block.
inline QImage pageImage(const QString& pdf, int page = 1)
{
    constexpr int Times = 4;
    QTemporaryDir dir;
    const QString base = dir.filePath(QStringLiteral("page"));
    poppler(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QString::number(96 * Times), QStringLiteral("-f"),
                                         QString::number(page), QStringLiteral("-l"), QString::number(page),
                                         QStringLiteral("-singlefile"), QStringLiteral("-png"), pdf, base});
    const QImage big = QImage(base + QStringLiteral(".png")).convertToFormat(QImage::Format_RGB32);
    QImage out(big.width() / Times, big.height() / Times, QImage::Format_RGB32);
    for (int y = 0; y < out.height(); ++y)
        for (int x = 0; x < out.width(); ++x)
            out.setPixel(x, y, big.pixel(x * Times + Times / 2, y * Times + Times / 2));
    return out;
}

inline QString pdfText(const QString& pdf)
{
    return poppler(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
}

// 0 when the file is no PDF poppler can read.
inline int pageCount(const QString& pdf)
{
    const auto m = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)"))
                       .match(poppler(QStringLiteral("pdfinfo"), {pdf}));
    return m.hasMatch() ? m.captured(1).toInt() : 0;
}

struct PlacedImage {
    int width = 0;
    double xPpi = 0;
    QString encoding;
};

inline std::vector<PlacedImage> placedImages(const QString& pdf)
{
    std::vector<PlacedImage> out;
    const QStringList lines = poppler(QStringLiteral("pdfimages"), {QStringLiteral("-list"), pdf})
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines.mid(2)) {
        // page num type width height color comp bpc enc interp object ID x-ppi y-ppi size ratio
        const QStringList f = line.simplified().split(QLatin1Char(' '));
        if (f.size() >= 14)
            out.push_back({f[3].toInt(), f[12].toDouble(), f[8]});
    }
    return out;
}

// Each word with its box, in points from the page's top left.
struct PlacedWord {
    QString text;
    double xMin = 0, yMin = 0, xMax = 0, yMax = 0;
};

inline std::vector<PlacedWord> placedWords(const QString& pdf)
{
    std::vector<PlacedWord> out;
    static const QRegularExpression word(QStringLiteral(
        "<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">([^<]*)</word>"));
    const QString html = poppler(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), pdf, QStringLiteral("-")});
    for (auto it = word.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        out.push_back({m.captured(5), m.captured(1).toDouble(), m.captured(2).toDouble(), m.captured(3).toDouble(),
                       m.captured(4).toDouble()});
    }
    return out;
}

inline bool near(QRgb a, QColor b, int tolerance)
{
    return std::abs(qRed(a) - b.red()) <= tolerance && std::abs(qGreen(a) - b.green()) <= tolerance &&
           std::abs(qBlue(a) - b.blue()) <= tolerance;
}

// Pixels of a colour inside a rectangle of the page.
inline int countColour(const QImage& page, const QRect& area, QColor colour, int tolerance = 12)
{
    int n = 0;
    const QRect r = area.intersected(page.rect());
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += near(page.pixel(x, y), colour, tolerance);
    return n;
}

// The share of the picture's pixels that the page shows at `origin`.
inline double sharedPixels(const QImage& page, const QImage& picture, QPoint origin, int tolerance = 8)
{
    int same = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QPoint at = origin + QPoint(x, y);
            same += page.rect().contains(at) && near(page.pixel(at), picture.pixelColor(x, y), tolerance);
        }
    return double(same) / (picture.width() * picture.height());
}

}  // namespace orm::test
