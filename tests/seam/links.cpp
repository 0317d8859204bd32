// A program that has a state, for the linker to say what it lacks.
int main() {}
