#pragma once

#include "MultiEntityHost/ChartOfAccounts.h"

// Whether an open account may carry an intercompany balance.
bool IsEligible(const CAccnt& account);
