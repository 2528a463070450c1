// The tree as people and programs read it.
#pragma once

#include <cstddef>
#include <string>

#include "tree/Tree.h"

namespace ZebManager {

enum class TreeLines { Boxes, Ascii };

/// Lines of the tree, the columns of things of one kind aligned. `width`: what a line may take, 0 for as much
/// as it needs; beyond it columns close up, and what comes last goes to a line of its own.
std::string textOfTree(const Tree& tree, bool colour, TreeLines lines, std::size_t width);
/// One nested document. What is not known is null.
std::string jsonOfTree(const Tree& tree);

/// What the locale of the environment can show.
TreeLines linesOfLocale();

}  // namespace ZebManager
