#pragma once

#include "Verb.h"

ExitCode recover(const QStringList &arguments);
