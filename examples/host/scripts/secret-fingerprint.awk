BEGIN {
    printf "<output>"
    begin_structure("Fingerprint")
    string_field("Algorithm", ENVIRON["ALGORITHM"])
    string_field("Digest", ENVIRON["DIGEST"])
    end_structure()
    print "</output>"
}
