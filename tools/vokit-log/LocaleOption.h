#pragma once

#include <QStringList>

/**
 * Takes "--locale NAME" out of the arguments, wherever it stands before a "--", and lets the dates
 * of files be read as a system of that locale writes them.
 *
 * Qt asks the environment for the system's locale once, at the first use of one: so this comes
 * before anything that could use one.
 *
 * @throws UsageFailure for a locale that Qt doesn't know
 */
void takeLocale(QStringList &arguments);
