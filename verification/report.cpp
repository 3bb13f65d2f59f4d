#include "report.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace velmor::verification {
namespace {

constexpr double MovedBy = 1e-6;        // of the stored value
constexpr double PitfallFrom = 0.02;    // a wrong model is off by more, the better one by less
constexpr double WrittenAsZero = 1e-9;  // differences below this are rounding

double Difference(double reference, double ours) { return (ours - reference) / reference; }
double Difference(const Value& value) { return Difference(value.reference, value.ours); }

std::string Number(double value, int digits = 6) {
  std::ostringstream text;
  text.precision(digits);
  text << value;
  std::string number = text.str();
  const std::size_t exponent = number.find('e');
  if (exponent == std::string::npos) return number;
  if (number[exponent + 1] == '+') number.erase(exponent + 1, 1);
  while (number[number.find_first_of("0123456789", exponent)] == '0') number.erase(number.find('0', exponent), 1);
  return number;
}

std::string Percent(double difference) {
  if (std::abs(difference) < WrittenAsZero) return "0";
  return Number(100 * difference, std::abs(difference) < 0.001 ? 1 : std::abs(difference) < 0.1 ? 2 : 3);
}

bool IsMet(const Case& c) {
  const auto all = [&](double limit) {
    return std::all_of(c.values.begin(), c.values.end(),
                       [&](const Value& v) { return std::abs(Difference(v)) <= limit; });
  };
  switch (c.expected) {
    case Class::Exact:
      return all(c.limit);
    case Class::Within1:
      return all(0.01);
    case Class::Within5:
      return all(0.05);
    case Class::Converging: {
      if (c.values.size() < 3) return false;
      for (std::size_t i = c.values.size() - 2; i < c.values.size(); ++i) {
        const double before = std::abs(Difference(c.values[i - 1])), now = std::abs(Difference(c.values[i]));
        if (now >= before && now > c.limit) return false;
      }
      return std::abs(Difference(c.values.back())) <= c.limit;
    }
    case Class::Coarse:
      return std::none_of(c.values.begin(), c.values.end(),
                          [](const Value& v) { return std::abs(Difference(v)) <= 0.05; });
  }
  return false;
}

std::string NameOf(Class expected) {
  switch (expected) {
    case Class::Exact:
      return "exact";
    case Class::Within1:
      return "within 1 %";
    case Class::Within5:
      return "within 5 %";
    case Class::Converging:
      return "converging";
    case Class::Coarse:
      return "coarse";
  }
  return {};
}

std::string ClassText(const Case& c) {
  std::string text = NameOf(c.expected);
  if (c.expected == Class::Exact) text += ", " + Number(c.limit);
  if (c.expected == Class::Converging) text += ", within " + Number(100 * c.limit) + " %";
  return c.why.empty() ? text : text + ": " + c.why;
}

/// The parts of a text with something between them.
template <typename List, typename PartOf>
std::string Joined(const List& list, const std::string& between, const PartOf& partOf) {
  std::string text;
  for (const auto& item : list) text += (text.empty() ? "" : between) + partOf(item);
  return text;
}

std::string TableRow(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) row += cell.empty() ? " |" : " " + cell + " |";
  return row + "\n";
}

/// A row of a case; a converging one has a row for all its meshes.
std::string RowsOf(const Case& c) {
  std::string rows;
  if (c.expected == Class::Converging) {
    const Value& last = c.values.back();
    return TableRow({c.name, c.source, c.type, Joined(c.values, "; ", [](const Value& v) { return v.mesh; }),
                     last.quantity, Number(last.reference), Number(last.ours),
                     Joined(c.values, "; ", [](const Value& v) { return Percent(Difference(v)); }), ClassText(c)});
  }
  for (const Value& v : c.values) {
    const bool first = &v == &c.values.front();
    rows += TableRow({first ? c.name : "", first ? c.source : "", first ? c.type : "", v.mesh, v.quantity,
                      Number(v.reference), Number(v.ours), Percent(Difference(v)), first ? ClassText(c) : ""});
  }
  return rows;
}

std::string TextOf(const Group& group) {
  std::string text = "\n## " + group.title + "\n\n" + group.text + "\n";
  text += "| Case | Source | Type | Mesh | Quantity | Reference | Velmor | Difference, % | Class |\n";
  text += "|---|---|---|---|---|---|---|---|---|\n";
  for (const Case& c : group.cases) text += RowsOf(c);
  return text;
}

constexpr const char* Introduction = R"(# Verification

Published results and closed forms beside what the program makes of them. This page is written by a program, do not edit
it:

    scripts/verify            # build the release program, run all cases, write this page and verification/values.txt
    scripts/verify --check    # the same without writing; fails if anything has changed

Each value comes from a run of the release program, from files to files. The models are made by generators in
`verification/`, a few lines a case. The check fails if a value moves by more than 1e-6 of itself from
`verification/values.txt`, if a class below no longer holds, if cases come or go, or if this page is not the one that
belongs to the stored values.

Units are those of the source; where none are given the numbers fit any consistent set. The difference is (Velmor -
reference)/reference. Differences below 1e-7 % are rounding and written as 0. The classes:

| Class | Claims of every value of the case |
|---|---|
| exact, 1e-9 | equal to the reference but for rounding; the number is the largest difference allowed. 1e-6 stands where a file carries seven digits (element loads, accelerations, spring matrices), where the eigen stage's π of 3.141593 enters, or where the model is nearly that of the closed form and no more; above that the case says why |
| within 1 %, within 5 % | a difference of no more than that |
| converging, within 1 % | on the last three of finer and finer meshes the difference gets smaller or is within the percentage given, and the last one is; meshes and differences stand in order, the value is that of the last |
| coarse | off by more than 5 %, and the class says why |

The reference of a row is a published number where the source is a letter or two of the group's list, and a closed form,
written out above the table, where it is A. Elements and their limits: [limits.md](limits.md).
)";

constexpr const char* NotToModel = R"(
## What not to model

Each of these models runs to its end with status 0, and is wrong, for a reason that [limits.md](limits.md) gives. The
second value is that of a model that does the job.

| Model | Quantity | Right | This model | Off by, % | Instead | Gives | Off by, % |
|---|---|---|---|---|---|---|---|
)";

constexpr const char* Refused = R"(
These are refused:

| Model | Exit status | The program says |
|---|---|---|
)";

std::string NameOf(const Group& group, const Case& c, const Value& value) {
  return group.title + " / " + c.name + " / " + c.type + " / " + value.mesh + " / " + value.quantity;
}

/// Hands every value of a manual to a procedure, with its name.
template <typename AnyManual, typename Visit>
void ForEachValue(AnyManual& manual, const Visit& visit) {
  for (auto& group : manual.groups) {
    for (auto& c : group.cases) {
      for (auto& value : c.values) visit(NameOf(group, c, value), value.ours);
    }
  }
  for (auto& pitfall : manual.pitfalls) {
    const std::string name = "What not to model / " + pitfall.what + " / " + pitfall.quantity + " / ";
    visit(name + "wrong", pitfall.wrong);
    visit(name + "better", pitfall.better);
  }
}

}  // namespace

ValueTable ValuesOf(const Manual& manual) {
  ValueTable values;
  const auto add = [&](const std::string& name, double value) {
    if (!std::isfinite(value)) throw std::runtime_error("no number: " + name);
    if (!values.emplace(name, value).second) throw std::runtime_error("two values of one name: " + name);
  };
  ForEachValue(manual, add);
  for (const Refusal& refusal : manual.refusals) add("What not to model / refused / " + refusal.what, refusal.status);
  return values;
}

Manual WithValues(Manual manual, const ValueTable& values) {
  ForEachValue(manual, [&](const std::string& name, double& value) {
    const auto at = values.find(name);
    if (at != values.end()) value = at->second;
  });
  return manual;
}

std::string TextOf(const ValueTable& values) {
  std::string text;
  for (const auto& [name, value] : values) {
    char digits[32];
    text += name + "\t" + std::string(digits, std::to_chars(digits, std::end(digits), value).ptr) + "\n";
  }
  return text;
}

ValueTable ReadValues(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  ValueTable values;
  for (std::string line; std::getline(file, line);) {
    const std::size_t tab = line.rfind('\t');
    double value = 0;
    const char* const end = line.data() + line.size();
    if (tab == std::string::npos || std::from_chars(line.data() + tab + 1, end, value).ptr != end) {
      throw std::runtime_error("a line that does not read: " + line);
    }
    values[line.substr(0, tab)] = value;
  }
  return values;
}

std::vector<std::string> Faults(const Manual& manual) {
  std::vector<std::string> faults;
  for (const Group& group : manual.groups) {
    for (const Case& c : group.cases) {
      if (!IsMet(c)) faults.push_back("not " + ClassText(c) + ":\n" + RowsOf(c));
    }
  }
  for (const Pitfall& p : manual.pitfalls) {
    if (std::abs(Difference(p.right, p.wrong)) < PitfallFrom) faults.push_back("no longer wrong: " + p.what);
    if (std::abs(Difference(p.right, p.better)) > PitfallFrom) faults.push_back("no better: " + p.what);
  }
  for (const Refusal& refusal : manual.refusals) {
    if (refusal.status == 0) faults.push_back("no longer refused: " + refusal.what);
  }
  return faults;
}

std::vector<std::string> Moves(const ValueTable& stored, const ValueTable& now) {
  std::vector<std::string> moves;
  for (const auto& [name, value] : now) {
    const auto at = stored.find(name);
    if (at == stored.end()) {
      moves.push_back("new: " + name);
    } else if (std::abs(value - at->second) > MovedBy * std::abs(at->second)) {
      moves.push_back("moved from " + Number(at->second, 10) + " to " + Number(value, 10) + ": " + name);
    }
  }
  for (const auto& [name, value] : stored) {
    if (!now.contains(name)) moves.push_back("gone: " + name);
  }
  return moves;
}

std::string CountByClass(const Manual& manual) {
  std::string text;
  for (const Class kind : {Class::Exact, Class::Within1, Class::Within5, Class::Converging, Class::Coarse}) {
    std::ptrdiff_t count = 0;
    for (const Group& group : manual.groups) {
      count += std::count_if(group.cases.begin(), group.cases.end(), [&](const Case& c) { return c.expected == kind; });
    }
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + NameOf(kind);
  }
  return text;
}

std::string PageOf(const Manual& manual) {
  std::string page = Introduction;
  page += "\nCases by class: " + CountByClass(manual) + ".\n";
  for (const Group& group : manual.groups) page += TextOf(group);
  page += NotToModel;
  for (const Pitfall& p : manual.pitfalls) {
    page += TableRow({p.what, p.quantity, Number(p.right), Number(p.wrong), Percent(Difference(p.right, p.wrong)),
                      p.instead, Number(p.better), Percent(Difference(p.right, p.better))});
  }
  page += Refused;
  for (const Refusal& r : manual.refusals) page += TableRow({r.what, std::to_string(r.status), r.says});
  return page;
}

}  // namespace velmor::verification
