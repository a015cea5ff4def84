BEGIN {
    printf "<output>"
    begin_structure("SystemInfo")
    string_field("Host Name", ENVIRON["HOST_NAME"])
    string_field("System", ENVIRON["SYSTEM_NAME"])
    string_field("Kernel", ENVIRON["KERNEL"])
    string_field("Release", ENVIRON["RELEASE"])
    string_field("Machine", ENVIRON["MACHINE"])
    int_field("Processors", ENVIRON["PROCESSORS"])
    int_field("Uptime", ENVIRON["UPTIME"])
    end_structure()
    print "</output>"
}
