int main() { int unused_for_a_warning = 1; }
