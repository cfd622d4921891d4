#pragma once

#include "Verb.h"

ExitCode report(const QStringList &arguments);
