// Checks that a screenshot of the main panel shows a panel: big enough, many colours,
// no single colour covering nearly all of it, and not black.
//   check-screenshot <file.png> [minWidth minHeight]
#include <QColor>
#include <QHash>
#include <QImage>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <file.png> [minWidth minHeight]\n", argv[0]);
        return 2;
    }
    const int minWidth = argc > 3 ? std::atoi(argv[2]) : 700;
    const int minHeight = argc > 3 ? std::atoi(argv[3]) : 450;
    QImage img(QString::fromLocal8Bit(argv[1]));
    if (img.isNull()) {
        std::fprintf(stderr, "%s: not a readable picture\n", argv[1]);
        return 1;
    }
    img = img.convertToFormat(QImage::Format_RGB32);
    QHash<QRgb, long> counts;
    long dark = 0;
    for (int y = 0; y < img.height(); ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            ++counts[line[x]];
            if (qGray(line[x]) < 16) ++dark;
        }
    }
    long most = 0;
    for (long c : counts) most = std::max(most, c);
    const double pixels = double(img.width()) * img.height();
    const double mostShare = most / pixels;
    const double darkShare = dark / pixels;
    std::printf("%dx%d pixels, %lld colours, commonest colour %.1f%%, near black %.1f%%\n", img.width(), img.height(),
                static_cast<long long>(counts.size()), 100 * mostShare, 100 * darkShare);
    bool ok = true;
    if (img.width() < minWidth || img.height() < minHeight) {
        std::fprintf(stderr, "too small: expected at least %dx%d\n", minWidth, minHeight);
        ok = false;
    }
    if (counts.size() < 16) {
        std::fprintf(stderr, "blank: fewer than 16 colours\n");
        ok = false;
    }
    if (mostShare > 0.9 || darkShare > 0.5) {
        std::fprintf(stderr, "blank: one colour covers the picture\n");
        ok = false;
    }
    return ok ? 0 : 1;
}
