int verdin_libpulse_stand_in;  /* a library of the client library's name with none of its functions */
