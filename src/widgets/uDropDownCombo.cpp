#include "widgets/uDropDownCombo.h"
