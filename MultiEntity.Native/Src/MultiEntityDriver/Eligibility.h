#pragma once

#include "host/ChartOfAccounts.h"

// Whether an open account may carry an intercompany balance.
bool IsEligible(const CAccnt& account);
