#pragma once
// The program's help: an HTML help set installed with it ("../help/html/" through the
// panel search path), shown in one help viewer window. Opened on its index (the Help
// menu, F1 on the main panel), on its search page, or on the topic of a panel (F1
// elsewhere).
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

class Panel;

class HelpSystem {
public:
    static void openIndex();
    static void openSearch(const std::string& keyword);
    static void openTopic(const std::string& topic);

    // The page shown last: a file name of the set ("index.html", "PLogFile.html"), or
    // "search:<keyword>" for a list of search results. Empty before any.
    static std::string currentPage();
    static Panel* viewer();  // null before the first opening
    static void shutdown();  // deletes the viewer; before the application ends

    // The directory of the help set, or empty when it isn't installed.
    static std::string helpDirectory();
    // The page for a topic: "<topic>.html" when the set has one, else the index.
    static std::string pageForTopic(const std::string& topic);
    // Pages whose text holds the keyword (case-insensitive), as file name and title,
    // in file name order; every page for an empty keyword.
    static std::vector<std::pair<std::string, std::string>> search(const std::string& keyword);
};

}  // namespace tarvex
