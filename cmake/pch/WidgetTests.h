#include "Tests.h"
#include "Widgets.h"

#include <QTest>
