// Spoken digits in noise.
int main() {}
