/// Visible, but nothing that a dispatcher would call.
extern "C" __attribute__((visibility("default"))) int corvel_test_no_entry_point;
int corvel_test_no_entry_point = 1;
