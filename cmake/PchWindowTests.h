#pragma once
#include "PchTests.h"
#include "PchWidgets.h"
#include <QApplication>
