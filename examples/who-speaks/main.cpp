// Who speaks: a codebook a speaker.
int main() {}
