#pragma once

#include "Verb.h"

ExitCode show(const QStringList &arguments);
