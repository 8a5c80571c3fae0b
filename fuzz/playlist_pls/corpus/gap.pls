[playlist]
File1=a.mp3
File3=sub/c.mp3
File2=http://h/s.mp3
NumberOfEntries=3
