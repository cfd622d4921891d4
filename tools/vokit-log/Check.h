#pragma once

#include "Verb.h"

ExitCode check(const QStringList &arguments);
