#include "panels/layer/HelpSystem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QUrl>

#include "panels/layer/Panel.h"
#include "panels/layer/SearchPath.h"

namespace tarvex {

namespace {

std::string shownPage;

class HelpViewer : public Panel {
public:
    HelpViewer() : Panel("HelpViewer", "Tarvex Help", "PHelpViewer.ui", 80, 80, 640, 520) {
        registerCallback("index", [] { HelpSystem::openIndex(); });
        registerCallback("search", [this] { HelpSystem::openSearch(getLabel("TSearch")); });
        registerCallback("back", [this] {
            if (auto* b = qobject_cast<QTextBrowser*>(getObject("TeHelp"))) b->backward();
        });
        registerCallback("dismiss", [this] { hide(); });
        // F1 on the viewer itself leads back to the contents.
        bindKey(Qt::Key_F1, [] { HelpSystem::openIndex(); });
        // Following a link is showing a page as well.
        if (auto* b = qobject_cast<QTextBrowser*>(getObject("TeHelp")))
            QObject::connect(b, &QTextBrowser::sourceChanged, b, [](const QUrl& url) {
                if (!url.fileName().isEmpty()) shownPage = url.fileName().toStdString();
            });
    }
};

HelpViewer* theViewer = nullptr;

HelpViewer& viewerPanel() {
    if (!theViewer) theViewer = new HelpViewer;
    return *theViewer;
}

QTextBrowser* browser() { return qobject_cast<QTextBrowser*>(viewerPanel().getObject("TeHelp")); }

void showPage(const std::string& page) {
    shownPage = page;
    HelpViewer& v = viewerPanel();
    const std::string dir = HelpSystem::helpDirectory();
    if (QTextBrowser* b = browser()) {
        if (dir.empty()) {
            b->setPlainText("The help pages are not installed.");
        } else {
            b->setSearchPaths({QString::fromStdString(dir)});
            b->setSource(QUrl::fromLocalFile(QDir(QString::fromStdString(dir)).filePath(QString::fromStdString(page))));
        }
    }
    v.show();
}

QString pageText(const QString& path, QString& title) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    QString html = QString::fromUtf8(f.readAll());
    static const QRegularExpression titleRe("<title>(.*?)</title>", QRegularExpression::CaseInsensitiveOption |
                                                                        QRegularExpression::DotMatchesEverythingOption);
    auto m = titleRe.match(html);
    title = m.hasMatch() ? m.captured(1).trimmed() : QString();
    static const QRegularExpression tags("<[^>]*>");
    return html.remove(tags);
}

}  // namespace

std::string HelpSystem::helpDirectory() {
    const std::string index = SearchPath::find("../help/html/index.html");
    if (index.empty()) return {};
    return QFileInfo(QString::fromStdString(index)).absolutePath().toStdString();
}

std::string HelpSystem::pageForTopic(const std::string& topic) {
    // The settings panels of the sampling methods share one page.
    static const char* const sampling[] = {"PLatin", "PRandom", "PLpTau", "PMorris", "PFast",
                                           "PSobol", "PFixed", "PRepLatin", "PTruncation"};
    std::string page = topic;
    for (const char* s : sampling)
        if (topic == s) page = "sampling";
    const std::string dir = helpDirectory();
    if (!dir.empty() && !page.empty() &&
        QFile::exists(QDir(QString::fromStdString(dir)).filePath(QString::fromStdString(page + ".html"))))
        return page + ".html";
    return "index.html";
}

std::vector<std::pair<std::string, std::string>> HelpSystem::search(const std::string& keyword) {
    std::vector<std::pair<std::string, std::string>> out;
    const std::string dir = helpDirectory();
    if (dir.empty()) return out;
    const QDir d(QString::fromStdString(dir));
    const QString key = QString::fromStdString(keyword).trimmed();
    for (const QString& file : d.entryList({"*.html"}, QDir::Files, QDir::Name)) {
        if (file == "search.html") continue;
        QString title;
        const QString text = pageText(d.filePath(file), title);
        if (key.isEmpty() || text.contains(key, Qt::CaseInsensitive))
            out.emplace_back(file.toStdString(), (title.isEmpty() ? file : title).toStdString());
    }
    return out;
}

void HelpSystem::openIndex() { showPage("index.html"); }

void HelpSystem::openTopic(const std::string& topic) { showPage(pageForTopic(topic)); }

void HelpSystem::openSearch(const std::string& keyword) {
    if (keyword.empty()) {
        showPage("search.html");
        viewerPanel().setLabel("TSearch", "");
        if (QWidget* field = viewerPanel().getGadget("TSearch")) field->setFocus();
        return;
    }
    const auto hits = search(keyword);
    QString html = "<html><body><h2>Search: " + QString::fromStdString(keyword).toHtmlEscaped() + "</h2>";
    if (hits.empty()) html += "<p>No page mentions this word.</p>";
    else {
        html += "<ul>";
        for (const auto& [file, title] : hits)
            html += "<li><a href=\"" + QString::fromStdString(file) + "\">" + QString::fromStdString(title).toHtmlEscaped() + "</a></li>";
        html += "</ul>";
    }
    html += "</body></html>";
    shownPage = "search:" + keyword;
    viewerPanel().setLabel("TSearch", keyword);
    if (QTextBrowser* b = browser()) {
        const std::string dir = helpDirectory();
        if (!dir.empty()) b->setSearchPaths({QString::fromStdString(dir)});
        b->setHtml(html);
    }
    viewerPanel().show();
}

std::string HelpSystem::currentPage() { return shownPage; }

Panel* HelpSystem::viewer() { return theViewer; }

void HelpSystem::shutdown() {
    delete theViewer;
    theViewer = nullptr;
    shownPage.clear();
}

}  // namespace tarvex
