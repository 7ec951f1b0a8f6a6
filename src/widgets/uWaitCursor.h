#pragma once

/// The hourglass over all windows. Many statements may show it; the first idle moment of the run
/// loop hides it, however often it was shown.
class TWaitCursor
{
public:
    static void Show();
    static void Hide();
    static bool IsShown();
};
