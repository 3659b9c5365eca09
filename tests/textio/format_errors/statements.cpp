#include "textio/channel/statement.h"

// Statements that must not compile, each kind of fault in a section of its own, and some that must.
using namespace varpre;

void statements([[maybe_unused]] StoreFile& unit, [[maybe_unused]] Input& input) {
  [[maybe_unused]] int number = 0;
  [[maybe_unused]] Text<8> name;
  [[maybe_unused]] std::array<Text<8>, 2> names;
  [[maybe_unused]] std::array<double, 2> values{};

#if defined(accepted)
  write<"(A8,1X,I4,1H ,' it''s',-3PF8.3,2(A8,1PE11.4))">(unit, name, 1, 2.0, zip(names, values));
  write<"(/1x,i4/' a':2P,F8.3:/)">(unit, 1, 2.0);
  write<"(2(2(2(2(I300)))))">(unit, 1);
  static_cast<void>(read<"(A8,I4,2(1X,E10.3))">(input, name, number, values));

#elif defined(opening_parenthesis_missing)
  write<"I4">(unit, 1);

#elif defined(closing_parenthesis_missing)
  write<"(2(I4)">(unit, 1);

#elif defined(text_after_closing_parenthesis)
  write<"(I4))">(unit, 1);

#elif defined(comma_missing)
  write<"(I4I4)">(unit, 1, 2);
  write<"('a' 'b')">(unit);

#elif defined(quote_not_closed)
  write<"('it''s)">(unit);
  write<"(9Hshort)">(unit);

#elif defined(unknown_descriptor)
  write<"(G10.3)">(unit, 1.0);
  write<"(P,I4)">(unit, 1);
  write<"(2/)">(unit);

#elif defined(width_missing)
  write<"(I)">(unit, 1);
  write<"(F0.2)">(unit, 1.0);
  write<"(X,I4)">(unit, 1);
  write<"(Hx)">(unit);

#elif defined(digits_missing_after_point)
  write<"(F8)">(unit, 1.0);
  write<"(1PE11.)">(unit, 1.0);

#elif defined(number_too_large)
  write<"(I301)">(unit, 1);
  write<"(4294967298I4)">(unit, 1);

#elif defined(repeat_count_is_zero)
  write<"(0I4)">(unit, 1);

#elif defined(repeat_count_not_allowed_here)
  write<"(3'ab')">(unit);
  write<"(-2I4)">(unit, 1);

#elif defined(groups_nested_too_deep)
  write<"((((((I4))))))">(unit, 1);

#elif defined(item_has_no_descriptor_of_its_type)
  write<"(I4)">(unit, 1.0);
  write<"(I4)">(unit, name);
  write<"(' HEADING')">(unit, 1);
  write<"(A8,I4)">(unit, 1, name);
  write<"(A8,2(1X,I4))">(unit, name, 1, 2, 3.0);
  write<"(5I4)">(unit, values);
  write<"(I4,5(A8))">(unit, 1, zip(names, values));
  static_cast<void>(read<"(A8,I4)">(input, name, values[0]));

#elif defined(an_item_of_a_record_is)
  write<"(I5)">(unit, names.size());
#endif
}
