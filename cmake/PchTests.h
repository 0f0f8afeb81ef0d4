#pragma once
#include "PchCore.h"
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
