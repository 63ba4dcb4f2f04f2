#include "standalone/reports/TrialBalance.h"

#include <array>
#include <limits>
#include <ranges>
#include <utility>

#include "standalone/reports/Sum.h"

namespace standalone {

namespace {

struct Node {
  LedgerAccount account;
  std::vector<std::size_t> children;
  std::size_t parent = 0;  // kNone at the top
  std::size_t level = 0;
  std::int64_t own = 0;
  std::int64_t balance = 0;
  bool isUsed = false;
};

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

class Tree {
 public:
  explicit Tree(std::vector<LedgerAccount> accounts) {
    nodes_.reserve(accounts.size());
    for (LedgerAccount& account : accounts) {
      byId_.emplace(account.id, nodes_.size());
      nodes_.emplace_back().account = std::move(account);
    }
    for (std::size_t index = 0; index < nodes_.size(); ++index) {
      Node& node = nodes_[index];
      const auto parent = byId_.find(node.account.parentId);
      node.parent = parent == byId_.end() ? kNone : parent->second;
      (node.parent == kNone ? top_ : nodes_[node.parent].children).push_back(index);
    }
  }

  void Add(std::int32_t accountId, std::int64_t amount) {
    Node& node = NodeOf(accountId);
    AddTo(node.own, amount);
    node.isUsed = true;
  }

  // Each account before those below it, from the top or from one account.
  std::vector<Node*> InOrder(const std::optional<std::int32_t>& from) {
    std::vector<std::size_t> ahead;
    const auto push = [&ahead](const std::vector<std::size_t>& siblings) {
      ahead.insert(ahead.end(), siblings.rbegin(), siblings.rend());
    };
    push(from ? std::vector<std::size_t>{byId_.at(*from)} : top_);
    std::vector<Node*> order;
    while (!ahead.empty()) {
      Node& node = nodes_[ahead.back()];
      ahead.pop_back();
      const bool isFirst = node.parent == kNone || (from && node.account.id == *from);
      node.level = isFirst ? 0 : nodes_[node.parent].level + 1;
      order.push_back(&node);
      push(node.children);
    }
    return order;
  }

  void AddUp(const std::vector<Node*>& order) {
    for (Node* const node : std::views::reverse(order)) {
      AddTo(node->balance, node->own);
      if (node->level == 0) continue;
      Node& parent = nodes_[node->parent];
      AddTo(parent.balance, node->balance);
      parent.isUsed = parent.isUsed || node->isUsed;
    }
  }

 private:
  // Most of many lines are found without a hash.
  Node& NodeOf(std::int32_t accountId) {
    std::size_t& place = places_[static_cast<std::uint32_t>(accountId) % places_.size()];
    if (place >= nodes_.size() || nodes_[place].account.id != accountId) place = byId_.at(accountId);
    return nodes_[place];
  }

  std::vector<Node> nodes_;
  std::vector<std::size_t> top_;
  std::unordered_map<std::int32_t, std::size_t> byId_;
  std::array<std::size_t, 1024> places_{};
};

}  // namespace

TrialBalance ReadTrialBalance(LedgerQueries& ledger, const TrialBalanceQuery& query) {
  Tree tree(ledger.Accounts());
  ledger.ForEachAmount(query.days,
                       [&tree](std::int32_t accountId, std::int64_t amount) { tree.Add(accountId, amount); });
  const std::vector<Node*> order = tree.InOrder(query.accountId);
  tree.AddUp(order);

  const std::size_t depth = query.depth.value_or(kNone);
  TrialBalance report;
  for (Node* const node : order) {
    const bool isAskedFor = query.accountId && node->level == 0;
    if (node->level >= depth || !(node->isUsed || query.withUnused || isAskedFor)) continue;
    if (node->level == 0) {
      AddTo(node->balance < 0 ? report.credits : report.debits, node->balance < 0 ? -node->balance : node->balance);
    }
    report.lines.push_back({.account = std::move(node->account),
                            .level = node->level,
                            .balance = node->balance,
                            .own = node->level + 1 == depth ? node->balance : node->own});
  }
  return report;
}

std::unordered_map<std::int32_t, std::int64_t> ReadBalances(LedgerQueries& ledger, LedgerDays days) {
  std::unordered_map<std::int32_t, std::int64_t> balances;
  ledger.ForEachAmount(
      days, [&balances](std::int32_t accountId, std::int64_t amount) { AddTo(balances[accountId], amount); });
  return balances;
}

}  // namespace standalone
