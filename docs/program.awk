# Makes a program from the examples of the documents. The first C++ block becomes the start of the
# program. Each later one becomes a block in main.
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
