#pragma once
// How a panel that works on a copy of a project's part was closed: accepted, so
// that the copy replaces the part, or cancelled, leaving the part as it was. Apart
// from the user interface so that the panels' openers can name it without the
// interface's other types.

namespace tarvex {

enum class PanelOutcome { Accepted, Cancelled };

}  // namespace tarvex
