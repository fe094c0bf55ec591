// A module that forgot its entry: the host must name it and go on.
extern "C" __attribute__((visibility("default"))) int vexa_module_version()
{
    return 1;
}
