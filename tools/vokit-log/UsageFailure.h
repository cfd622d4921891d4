#pragma once

#include "Failure.h"

/// A command line that makes no sense.
class UsageFailure : public Failure
{
public:
    using Failure::Failure;
};
