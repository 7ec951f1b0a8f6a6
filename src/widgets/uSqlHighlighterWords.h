#pragma once

#include "widgets/uSqlHighlighter.h"

#include <string_view>

/// The words that the highlighter knows.
class TSqlHighlighterWords
{
public:
    /// Style of a word in small letters; a function's name counts only where it is called.
    static TSqlStyle StyleOf(std::string_view lowerWord, bool isCalled);
    /// Length of the longest word, in bytes.
    static size_t LongestWord();
};
