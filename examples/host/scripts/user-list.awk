BEGIN { FS = ":"; begin_list() }
NF >= 7 {
    if (index($1, ENVIRON["FILTER_PREFIX"]) != 1 && ENVIRON["FILTER_PREFIX"] != "") next
    login = $7 !~ /(\/nologin|\/false|\/sync)$/
    if (ENVIRON["FILTER_LOGIN"] != "" && !login) next
    begin_structure("User")
    string_field("Name", $1)
    int_field("UID", $3)
    int_field("GID", $4)
    string_field("Full Name", $5)
    string_field("Home", $6)
    string_field("Shell", $7)
    bool_field("Login", login)
    end_structure()
}
END { end_list() }
