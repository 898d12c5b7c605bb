# Makes a program of the examples in documents: the first block of C++ is its head, every other one a
# block of its own.
/^```cpp$/ {
  in_block = 1
  if (++count == 2) print "int main() {"
  if (count > 1) print "{"
  next
}
/^```/ && in_block {
  in_block = 0
  if (count > 1) print "}"
  next
}
in_block
END { print "}" }
