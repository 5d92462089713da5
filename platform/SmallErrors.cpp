#include <bits/functexcept.h>

#include <exception>
#include <new>

// In place of the run-time library's functions that throw for the standard containers. What theirs throw
// keeps its text in a string of its own, which would be a twentieth of the program; here the texts are
// literals, as all that the containers pass are. Nothing in the program catches one of those classes by its
// name.

namespace {

class ContainerError : public std::exception {
 public:
  explicit ContainerError(const char* text) noexcept : text_(text) {}
  const char* what() const noexcept override { return text_; }

 private:
  const char* text_;
};

}  // namespace

namespace std {

void __throw_bad_alloc() {
  throw bad_alloc();
}
void __throw_bad_array_new_length() {
  throw bad_array_new_length();
}
void __throw_bad_function_call() {
  throw ContainerError("an empty function was called");
}
void __throw_length_error(const char* text) {
  throw ContainerError(text);
}
void __throw_logic_error(const char* text) {
  throw ContainerError(text);
}
void __throw_out_of_range(const char* text) {
  throw ContainerError(text);
}
void __throw_out_of_range_fmt(const char* format, ...) {
  throw ContainerError(format);
}
void __throw_system_error(int) {
  throw ContainerError("the system refused a thread or a lock");
}

}  // namespace std
