// Draws the pictures the panels show: button and decoration icons, the hint and quick
// help cards of the sampling methods, and the description cards of the demonstration
// cases. Writes PNG files into <source>/bitmaps and <source>/help.
//   QT_QPA_PLATFORM=offscreen tarvex-draw-pictures src/panels
#include <QApplication>
#include <QDir>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <cmath>
#include <cstdio>

namespace {

QString outDir;

bool save(const QImage& img, const QString& rel) {
    const QString path = QDir(outDir).filePath(rel);
    if (!img.save(path)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

QImage canvas(int w, int h) {
    QImage img(w, h, QImage::Format_ARGB32);
    img.fill(Qt::transparent);
    return img;
}

// An open folder with a sheet: the "load a file" buttons.
QImage folder(bool enabled) {
    QImage img = canvas(24, 20);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor back = enabled ? QColor(214, 160, 40) : QColor(150, 150, 150);
    const QColor front = enabled ? QColor(246, 200, 80) : QColor(190, 190, 190);
    const QColor edge = enabled ? QColor(120, 80, 10) : QColor(100, 100, 100);
    p.setPen(QPen(edge, 1));
    p.setBrush(back);
    p.drawRect(QRectF(1.5, 3.5, 9, 3));
    p.drawRect(QRectF(1.5, 5.5, 19, 13));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(5.5, 1.5, 12, 10));
    p.setBrush(front);
    QPainterPath lid;
    lid.moveTo(1.5, 18.5);
    lid.lineTo(5.5, 9.5);
    lid.lineTo(23, 9.5);
    lid.lineTo(20.5, 18.5);
    lid.closeSubpath();
    p.drawPath(lid);
    return img;
}

QImage arrow(bool down) {
    QImage img = canvas(36, 36);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    if (down) {
        p.translate(36, 0);
        p.rotate(90);
    }
    QPainterPath a;
    a.moveTo(3, 13);
    a.lineTo(20, 13);
    a.lineTo(20, 5);
    a.lineTo(33, 18);
    a.lineTo(20, 31);
    a.lineTo(20, 23);
    a.lineTo(3, 23);
    a.closeSubpath();
    p.setPen(QPen(QColor(20, 60, 120), 1.5));
    p.setBrush(QColor(70, 130, 200));
    p.drawPath(a);
    return img;
}

// The program's mark: a histogram under a density curve.
QImage logo() {
    QImage img = canvas(72, 72);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(30, 70, 130));
    p.drawRoundedRect(QRectF(1, 1, 70, 70), 10, 10);
    const double heights[] = {8, 18, 34, 44, 36, 20, 9};
    p.setBrush(QColor(120, 180, 240));
    for (int i = 0; i < 7; ++i) p.drawRect(QRectF(8 + i * 8, 62 - heights[i], 7, heights[i]));
    QPainterPath curve;
    for (int x = 0; x <= 56; ++x) {
        const double t = (x - 28) / 11.0;
        const double y = 62 - 50 * std::exp(-t * t / 2);
        if (x == 0) curve.moveTo(8 + x, y);
        else curve.lineTo(8 + x, y);
    }
    p.setPen(QPen(QColor(255, 210, 80), 2.5));
    p.setBrush(Qt::NoBrush);
    p.drawPath(curve);
    return img;
}

// A card: a coloured heading band and lines of text; a line starting with "= " is set
// in a formula style.
QImage card(int w, int h, const QString& heading, const QStringList& lines, const QColor& accent) {
    QImage img(w, h, QImage::Format_ARGB32);
    img.fill(QColor(252, 251, 245));
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    const int band = h >= 150 ? 30 : 22;
    p.fillRect(QRect(0, 0, w, band), accent);
    QFont head("DejaVu Sans", h >= 150 ? 12 : 9, QFont::Bold);
    p.setFont(head);
    p.setPen(Qt::white);
    p.drawText(QRect(10, 0, w - 20, band), Qt::AlignVCenter | Qt::AlignLeft, heading);
    QFont body("DejaVu Sans", h >= 150 ? 10 : 8);
    QFont formula("DejaVu Serif", h >= 150 ? 11 : 8, QFont::Normal, true);
    int y = band + 8;
    for (const QString& line : lines) {
        const bool isFormula = line.startsWith("= ");
        p.setFont(isFormula ? formula : body);
        p.setPen(isFormula ? QColor(20, 40, 100) : QColor(30, 30, 30));
        const QString text = isFormula ? line.mid(2) : line;
        const QRect box(isFormula ? 24 : 10, y, w - (isFormula ? 34 : 20), h - y - 4);
        QRect used = p.boundingRect(box, Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, text);
        p.drawText(box, Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, text);
        y += used.height() + 4;
    }
    p.setPen(QPen(accent.darker(130), 2));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(1, 1, w - 2, h - 2));
    return img;
}

struct Card {
    const char* file;
    const char* heading;
    QStringList lines;
};

}  // namespace

// One frame of the external model's animation: a cog wheel turned by frame/14 of a
// tooth pitch and a dot that walks round the rim, so that seven frames side by side
// read as a moving wheel.
QImage taskFrame(int frame) {
    constexpr int kFrames = 14;
    QImage img = canvas(36, 36);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(18, 18);
    const double turn = 360.0 * frame / kFrames;
    p.rotate(turn / 7.0);
    QPainterPath cog;
    constexpr int kTeeth = 8;
    for (int t = 0; t < kTeeth; ++t) {
        const double a0 = 2 * M_PI * t / kTeeth;
        const double a1 = a0 + M_PI / kTeeth;
        const double pts[4][2] = {{a0, 15}, {a0 + 0.12, 15}, {a1 - 0.12, 11.5}, {a1 + M_PI / kTeeth, 11.5}};
        for (int k = 0; k < 4; ++k) {
            const QPointF q(pts[k][1] * std::cos(pts[k][0]), pts[k][1] * std::sin(pts[k][0]));
            if (t == 0 && k == 0) cog.moveTo(q);
            else cog.lineTo(q);
        }
    }
    cog.closeSubpath();
    cog.addEllipse(QPointF(0, 0), 4.5, 4.5);
    cog.setFillRule(Qt::OddEvenFill);
    p.setPen(QPen(QColor(60, 60, 70), 1.2));
    p.setBrush(QColor(150, 160, 175));
    p.drawPath(cog);
    p.resetTransform();
    p.translate(18, 18);
    p.rotate(turn);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor::fromHsv((frame * 360 / kFrames) % 360, 200, 230));
    p.drawEllipse(QPointF(0, -8), 3.2, 3.2);
    return img;
}

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <src/panels>\n", argv[0]);
        return 2;
    }
    outDir = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(QDir(outDir).filePath("bitmaps"));
    QDir().mkpath(QDir(outDir).filePath("help"));
    bool ok = true;
    ok &= save(folder(true), "bitmaps/oleagg.png");
    ok &= save(folder(false), "bitmaps/oleaggInv.png");
    ok &= save(arrow(false), "bitmaps/arrow.png");
    ok &= save(arrow(true), "bitmaps/arrowDown.png");
    ok &= save(logo(), "bitmaps/tarvex.png");
    for (int f = 0; f < 14; ++f) ok &= save(taskFrame(f), QString("bitmaps/task%1.png").arg(f + 1));

    const QColor hint(40, 110, 90);
    const Card hints[] = {
        {"help/random.png", "Random and Latin hypercube sampling",
         {"Random: every run draws each factor on its own; any sample size will do.",
          "Latin hypercube: each factor's range is cut into N strata of equal probability and each "
          "stratum is sampled once, so that small samples already cover every marginal.",
          "For regression and rank measures take at least 1.5 times as many runs as factors; "
          "ten times as many gives stable estimates."}},
        {"help/lptau.png", "QuasiRandom LpTau",
         {"Quasi-random LpTau points fill the unit hypercube more evenly than random ones, so "
          "means and variances converge faster.",
          "Choose sample sizes that are powers of two. The sequence is deterministic: the same "
          "size gives the same sample."}},
        {"help/morris.png", "Morris",
         {"A screening design: r trajectories of k+1 runs each change one factor at a time, "
          "giving r elementary effects per factor.",
          "= N = r (k + 1)",
          "A large mean of absolute effects marks an influential factor; a large standard "
          "deviation, non-linearity or interactions. r from 10 to 20 is usual."}},
        {"help/fast.png", "Fast",
         {"The Fourier amplitude sensitivity test moves all factors along a search curve with "
          "one frequency each and reads first order and total indices from the output's spectrum.",
          "The sample size is the number of factors times the runs per curve; 65 runs per curve "
          "or more are advisable. Factors of one group share a frequency."}},
        {"help/sobol.png", "Sobol",
         {"Variance based indices: first order effects and total effects, which include all "
          "interactions of a factor.",
          "The cost grows with the number of factors times the base sample; start with a base "
          "sample of a few hundred runs and check that the indices settle."}},
        {"help/fixed.png", "Fixed Samples",
         {"The runs are points you give: each factor takes the values of your table, row by row.",
          "Use it to rerun a model at chosen points or to compare with results from elsewhere."}},
        {"help/repLatin.png", "replicated Latin hypercube",
         {"r Latin hypercubes of the same size use the same values of each factor in new random "
          "orders.",
          "The replicas give importance measures (correlation ratios) of every factor; take at "
          "least two replicas, and more for stable estimates."}},
        {"help/truncation.png", "Default Truncation",
         {"Distributions without bounds (normal, lognormal, gamma, Weibull, exponential) are cut at "
          "low and high quantiles, so that every sampled value stays finite.",
          "The probability outside the bounds is not sampled; keep the cut points far in the "
          "tails unless the model can't take extreme values."}},
    };
    for (const Card& c : hints) ok &= save(card(420, 210, QString("Practitioner's hint: ") + c.heading, c.lines, hint), c.file);

    const QColor quick(60, 80, 140);
    const Card quicks[] = {
        {"help/QFast.png", "Fast", {"First order and total indices from one search curve per factor."}},
        {"help/QFixed.png", "Fixed samples", {"Runs at the points of a table you give."}},
        {"help/QLatin.png", "Latin hypercube", {"Stratified sampling: every stratum of every factor once."}},
        {"help/QLpTau.png", "QuasiRandom LpTau", {"Evenly spread quasi-random points; powers of two."}},
        {"help/QMorris.png", "Morris", {"Screening by elementary effects, one factor at a time."}},
        {"help/QRandom.png", "Random", {"Independent random draws of every factor."}},
        {"help/QRepLatin.png", "Replicated Latin", {"Replicas of one Latin hypercube for importance measures."}},
        {"help/QSobol.png", "Sobol", {"Variance based first order and total indices."}},
    };
    for (const Card& c : quicks) ok &= save(card(210, 100, c.heading, c.lines, quick), c.file);

    const QColor demo(130, 60, 40);
    const Card demos[] = {
        {"help/Ishigami.png", "Ishigami function",
         {"= Y = sin X1 + a sin\u00b2 X2 + b X3\u2074 sin X1",
          "X1, X2, X3 uniform on [-\u03c0, \u03c0], a = 7, b = 0.1.",
          "Strongly non-linear and non-monotonic: X3 acts only through its interaction with X1, "
          "so its first order index is 0 while its total index is not."}},
        {"help/Linear.png", "Linear model",
         {"= Y = a1 X1 + a2 X2 + ... + ak Xk",
          "For a linear model the standardised regression coefficients explain all of the "
          "variance: their squares are the first order indices and add up to 1."}},
        {"help/SobolG0.png", "Sobol g function", {"= G = \u220f (|4 Xi - 2| + ai) / (1 + ai)",
          "Xi uniform on [0, 1]. A small ai makes factor i important, a large ai unimportant; "
          "this case gives every factor the same weight."}},
        {"help/SobolG1.png", "Sobol g function", {"= G = \u220f (|4 Xi - 2| + ai) / (1 + ai)",
          "Xi uniform on [0, 1]. A small ai makes factor i important, a large ai unimportant; "
          "in this case a few factors dominate."}},
        {"help/SobolG2.png", "Sobol g function", {"= G = \u220f (|4 Xi - 2| + ai) / (1 + ai)",
          "Xi uniform on [0, 1]. A small ai makes factor i important, a large ai unimportant; "
          "in this case the importance falls off from factor to factor."}},
        {"help/SobolG3.png", "Sobol g function", {"= G = \u220f (|4 Xi - 2| + ai) / (1 + ai)",
          "Xi uniform on [0, 1]. A small ai makes factor i important, a large ai unimportant; "
          "in this case most factors hardly matter and interactions are strong."}},
    };
    for (const Card& c : demos) ok &= save(card(420, 210, c.heading, c.lines, demo), c.file);
    return ok ? 0 : 1;
}
