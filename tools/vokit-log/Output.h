#pragma once

#include "Console.h"
#include "OutputBlocks.h"

/// The standard output, written in blocks.
class Output : public OutputBlocks
{
public:
    /// add() and flush() throw Failure if it can't be written.
    Output()
        : OutputBlocks(
              [this](const QByteArray &block) { m_isWanted = m_isWanted && writeOutput(block); })
    {}

    /// Whether anybody still reads it.
    bool isWanted() const { return m_isWanted; }

private:
    bool m_isWanted = true;
};
