[PlayList]
file1=" padded .ogg"
file2=inner.vdp
file3=sub/back.m3u
numberofentries=9
