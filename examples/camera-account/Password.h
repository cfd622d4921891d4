#pragma once

#include <QString>

enum class Typed { Once, Twice };

/**
 * The password: asked for on the terminal, without showing it, if the standard input is one; else
 * the first line of the standard input.
 *
 * @param typed on a terminal only: Twice asks again, and wants the same
 * @throws Failure if there is none, or one that a hash can't tell from others: not UTF-8, outside
 *         Latin-1, with control characters; or if the terminal would show it
 */
QString readPassword(Typed typed);
