#include "panels/layer/Bitmaps.h"

#include <QImageReader>
#include <QString>
#include <set>

#include "panels/layer/SearchPath.h"

namespace tarvex {

namespace {
std::set<std::string>& registered() {
    static std::set<std::string> s;
    return s;
}
}  // namespace

int Bitmaps::registerReader(const std::string& suffix) {
    registered().insert(suffix);
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    return formats.contains(QByteArray::fromStdString(suffix)) ? 1 : 0;
}

bool Bitmaps::isRegistered(const std::string& suffix) { return registered().count(suffix) != 0; }

QPixmap Bitmaps::read(const std::string& name) {
    const std::string path = SearchPath::findPicture(name);
    if (path.empty()) return {};
    QPixmap pix;
    if (!pix.load(QString::fromStdString(path))) return {};
    return pix;
}

}  // namespace tarvex
