#pragma once
// The file formats a figure is saved in, chosen by the file's extension.
#include <string>

namespace tarvex {

enum class FigureFormat { PostScript, Eps, Pdf, Svg, Png };

// ".eps", ".pdf", ".svg", ".png" (any case) give their format; ".ps" and every other
// name give PostScript, the program's format for saved pictures.
FigureFormat figureFormatOf(const std::string& path);

}  // namespace tarvex
