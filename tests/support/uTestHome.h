#pragma once

#include <QTemporaryDir>

/// A home folder for one test program, so that no test reads or writes files of the person who
/// runs it, nor those of a test beside it. Make it before the application object.
class TTestHome
{
public:
    TTestHome();

private:
    QTemporaryDir FFolder;
};
