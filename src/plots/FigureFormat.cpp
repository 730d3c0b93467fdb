#include "plots/FigureFormat.h"

#include <cctype>

namespace tarvex {

FigureFormat figureFormatOf(const std::string& path) {
    const auto dot = path.find_last_of("./");
    if (dot == std::string::npos || path[dot] != '.') return FigureFormat::PostScript;
    std::string ext;
    for (char c : path.substr(dot + 1)) ext += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (ext == "eps") return FigureFormat::Eps;
    if (ext == "pdf") return FigureFormat::Pdf;
    if (ext == "svg") return FigureFormat::Svg;
    if (ext == "png") return FigureFormat::Png;
    return FigureFormat::PostScript;
}

}  // namespace tarvex
