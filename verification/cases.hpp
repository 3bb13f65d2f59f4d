#pragma once

#include <string>
#include <vector>

#include "solve.hpp"

namespace velmor::verification {

/// What a case claims of its values; main fails when one does not hold. Differences are (ours - reference)/reference.
enum class Class {
  Exact,       // every difference within the case's limit, which says what rounding and iteration allow
  Within1,     // every difference within 1 %
  Within5,     // every difference within 5 %
  Converging,  // one quantity on finer and finer meshes: of the last three, differences fall or are within the limit,
               // the last is
  Coarse       // beyond 5 % on this mesh, or no better on any: the case says why
};

struct Value {
  std::string mesh, quantity;
  double reference, ours;
};

/// A case of the manual, a row or a few.
struct Case {
  std::string name;    // with the model's data
  std::string source;  // "A" for a closed form, else as in the text of the group
  std::string type;    // element types
  Class expected;
  std::vector<Value> values;
  double limit = 1e-9;   // see Class
  std::string why = {};  // what there is to say beside the class
};

/// Cases of a kind, with a text that names the sources and writes out the closed forms.
struct Group {
  std::string title, text;
  std::vector<Case> cases;
};

Group Frames(const Program& program);
Group Membranes(const Program& program);
Group Plates(const Program& program);
Group Shells(const Program& program);
Group Vibration(const Program& program);
Group Contact(const Program& program);

/// A model that is not for this program, run all the same, and one that does the job.
struct Pitfall {
  std::string what, quantity;
  double right, wrong;
  std::string instead;
  double better;
};

/// Files that the program has to refuse.
struct Refusal {
  std::string what;
  int status;        // exit status
  std::string says;  // the line of standard error that tells why
};

std::vector<Pitfall> Pitfalls(const Program& program);
std::vector<Refusal> Refusals(const Program& program);

}  // namespace velmor::verification
