#include "uBench.h"
#include "uStartBench.h"

#include <QApplication>
#include <cstdio>
#include <exception>

/// korvane_bench [part of a name]: measures all rows, or those whose name contains the text.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    try {
        int exitCode = 0;
        const QStringList arguments = QApplication::arguments();
        if (TBenchStart::IsChild(arguments, exitCode) || TBench::IsChild(arguments, exitCode))
            return exitCode;
        return TBench::Run(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString()) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "korvane_bench: %s\n", error.what());
        return 2;
    }
}
