#pragma once

/// What runs ahead of the first window and behind the last.
class TAppStart
{
public:
    /// Folders, configuration, icons, style, remembered sizes and the calls between threads. What
    /// is broken of the user's files is shown, and the program goes on without it.
    static void Prepare();
    /// Saves the configuration; a failure is shown.
    static void Finish();
};
