/* A user's program: prints a log-sum and the file that the library was loaded from. */
#include <stdint.h>
#include <stdio.h>
#include <vornsr.h>

/* Declared here because C99 without extensions does not show it in <dlfcn.h>. */
typedef struct {
    const char* file;
    void* base;
    const char* symbol;
    void* address;
} LoadedObject;
extern int dladdr(const void* address, LoadedObject* info);

int main(void) {
    const Vorn32f scores[] = {-10.5f, -11.25f, -9.0f};
    Vorn32f total;
    LoadedObject loaded = {0, 0, 0, 0};
    if (vornsLogSum_32f(scores, &total, 3) != vornStsNoErr) return 1;
    printf("total=%.6f\n", total);
    dladdr(vornsrGetLibVersion(), &loaded);
    printf("library=%s\n", loaded.file ? loaded.file : "");
    return 0;
}
